/* Ends well where the processor has SSE3, whose instruction it runs. */
int main(void) {
    __asm__ volatile("haddps %xmm0, %xmm0");
    return 0;
}
