// Qt front end
