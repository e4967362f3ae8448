# SPDX-License-Identifier: MIT
# The compiler calls ___chkstk_ms in the prologue of a function with a large frame, to touch its pages from the top
# down: rax holds the frame's size, and every register is kept. The compiler's own copy has no unwind information, so
# that a stack overflow found by it could not be unwound; this one, found first by the linker, has.

    .text
    .globl  ___chkstk_ms
    .def    ___chkstk_ms; .scl 2; .type 32; .endef
    .seh_proc ___chkstk_ms
___chkstk_ms:
    pushq   %rcx
    .seh_pushreg %rcx
    pushq   %rax
    .seh_pushreg %rax
    .seh_endprologue
    leaq    24(%rsp), %rcx          # the caller's stack pointer
.LnextPage:
    cmpq    $4096, %rax
    jbe     .LlastPage
    subq    $4096, %rcx
    orq     $0, (%rcx)
    subq    $4096, %rax
    jmp     .LnextPage
.LlastPage:
    subq    %rax, %rcx
    orq     $0, (%rcx)
    popq    %rax
    popq    %rcx
    ret
    .seh_endproc
