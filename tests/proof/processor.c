/* Runs one instruction on the processor with given registers, flags and memory. */

#include <stddef.h>
#include <stdint.h>

struct state {
    uint64_t general[16]; /* in the order of their numbers in instructions */
    uint64_t flags;
    uint64_t taken; /* whether the instruction went to its target */
    uint8_t vector[16][16];
};

_Static_assert(offsetof(struct state, flags) == 128 && offsetof(struct state, vector) == 144, "run() relies on it");

/* Goes to `code` with the state loaded. The code ends by a jump to returned() or, where a branch is taken, to taken().
 */
void run(const void* code, struct state* state);
void returned(void);
void taken(void);

__asm__(
    ".bss\n"
    "own_stack: .quad 0\n"
    "state: .quad 0\n"
    "target: .quad 0\n"
    "spare: .quad 0\n"
    "was_taken: .quad 0\n"
    ".text\n"
    ".globl run, returned, taken\n"
    "run:\n"
    "  push %rbx\n  push %rbp\n  push %r12\n  push %r13\n  push %r14\n  push %r15\n"
    "  mov %rsp, own_stack(%rip)\n"
    "  mov %rsi, state(%rip)\n"
    "  mov %rdi, target(%rip)\n"
    "  movq $0, was_taken(%rip)\n"
    ".irp n, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15\n"
    "  movups 144+16*\\n(%rsi), %xmm\\n\n"
    ".endr\n"
    "  push 128(%rsi)\n  popfq\n"
    "  mov 0(%rsi), %rax\n  mov 8(%rsi), %rcx\n  mov 16(%rsi), %rdx\n  mov 24(%rsi), %rbx\n"
    "  mov 32(%rsi), %rsp\n  mov 40(%rsi), %rbp\n  mov 56(%rsi), %rdi\n"
    ".irp n, 8, 9, 10, 11, 12, 13, 14, 15\n"
    "  mov 8*\\n(%rsi), %r\\n\n"
    ".endr\n"
    "  mov 48(%rsi), %rsi\n"
    "  jmp *target(%rip)\n"
    "taken:\n"
    "  movq $1, was_taken(%rip)\n"
    "returned:\n"
    "  mov %rsi, spare(%rip)\n"
    "  mov state(%rip), %rsi\n"
    "  mov %rax, 0(%rsi)\n  mov %rcx, 8(%rsi)\n  mov %rdx, 16(%rsi)\n  mov %rbx, 24(%rsi)\n"
    "  mov %rsp, 32(%rsi)\n  mov %rbp, 40(%rsi)\n  mov %rdi, 56(%rsi)\n"
    ".irp n, 8, 9, 10, 11, 12, 13, 14, 15\n"
    "  mov %r\\n, 8*\\n(%rsi)\n"
    ".endr\n"
    "  mov own_stack(%rip), %rsp\n"
    "  pushfq\n  pop 128(%rsi)\n"
    "  mov spare(%rip), %rax\n  mov %rax, 48(%rsi)\n"
    "  mov was_taken(%rip), %rax\n  mov %rax, 136(%rsi)\n"
    ".irp n, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15\n"
    "  movups %xmm\\n, 144+16*\\n(%rsi)\n"
    ".endr\n"
    "  cld\n"
    "  pop %r15\n  pop %r14\n  pop %r13\n  pop %r12\n  pop %rbp\n  pop %rbx\n"
    "  ret\n"
    ".section .note.GNU-stack,\"\",@progbits\n"
    ".text\n");
