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

    # The named resources, all bytes 0 until they are trained. Exported, so not hidden.
    .macro resource name, size
    .balign 64
    .globl \name
    .type \name, %object
\name:
    .zero \size
    .size \name, \size
    .endm

    resource VIZL_resu1, 160
    resource VIZL_resu2, 178716
    resource VIZL_resu3, 178596
    resource VIZL_resu4, 4096

    .section .note.GNU-stack,"",%progbits
