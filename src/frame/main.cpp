// Entry point of the engine.
int main() { return 0; }
