// An empty program: its cost is that of the loader and the C library.
int main() {
    return 0;
}
