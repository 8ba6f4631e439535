// The emptiest program there is: what it takes is the loader's and the C library's.
int main() {
    return 0;
}
