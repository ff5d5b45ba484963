// Owns the precompiled headers of the test programs.
int main() { return 0; }
