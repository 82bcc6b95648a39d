./bin/SEGYHDRS </d/in.su

./bin/SEGYWRITE </d/in.su tape=  conv=1 trmin=1 trmax=10000 endian=0 buffer=1 errmax=0
pause
