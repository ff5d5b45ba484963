    .section .rodata
    .balign 64
    .globl class_dat
    .hidden class_dat
    .type class_dat, %object
class_dat:
    .incbin "class_dat.bin"
    .globl class_dat_end
    .hidden class_dat_end
class_dat_end:
    .size class_dat, class_dat_end - class_dat
    .section .note.GNU-stack,"",%progbits
