# SPDX-License-Identifier: MIT
# Frames that the compiler can't write: the one whose handler sees structured exceptions, and the one that stands
# between a faulting instruction and the translator. C declarations and the handlers are in SehTranslator.cpp.

    .text

# void CallTranslated(void (*body)(void*), void* context)
    .globl  CallTranslated
    .def    CallTranslated; .scl 2; .type 32; .endef
    .seh_proc CallTranslated
CallTranslated:
    subq    $40, %rsp
    .seh_stackalloc 40
    .seh_endprologue
    movq    %rcx, %rax
    movq    %rdx, %rcx
    call    *%rax
    nop                             # keeps the return address inside the frame's body
    addq    $40, %rsp
    ret
    .seh_handler SehThunkHandler, @except, @unwind
    .seh_endproc

# Entered in place of a faulting instruction, with its address in rcx. The address becomes the return address, so that
# to an unwinder the instruction looks like a call of this frame. The stack pointer may stand anywhere: the frame
# pointer remembers it while the stack is aligned.
    .globl  SehResumeAtFault
    .def    SehResumeAtFault; .scl 2; .type 32; .endef
    .seh_proc SehResumeAtFault
SehResumeAtFault:
    pushq   %rcx
    pushq   %rbp
    .seh_pushreg %rbp
    movq    %rsp, %rbp
    .seh_setframe %rbp, 0
    .seh_endprologue
    andq    $-16, %rsp
    subq    $32, %rsp
    call    SehTranslateFault
    int3                            # never reached
    .seh_handler SehResumeHandler, @unwind
    .seh_endproc
