// What a process costs before it does anything.
int main(void) {
    return 0;
}
