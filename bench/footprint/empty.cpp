// Does nothing: what it takes to start is what the libraries below this one take.

int main() {}
