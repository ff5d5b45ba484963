    .section .rodata
    .macro blob name, file
    .balign 64
    .globl \name
    .hidden \name
    .type \name, %object
\name:
    .incbin "\file"
    .globl \name\()_end
    .hidden \name\()_end
\name\()_end:
    .size \name, \name\()_end - \name
    .endm

    blob class_dat, class_dat.bin
    blob neuro_dat, neuro_dat.bin
    blob eigengrids, eigengrids.bin
    # The two mean grids are text; a zero byte ends each.
    blob mean_grid_40_text, mean_grid_40.txt
    .byte 0
    blob base_grid_text, base_grid.txt
    .byte 0

    # The named resources. Exported, so not hidden.
    .macro resource name, file
    .balign 64
    .globl \name
    .type \name, %object
\name:
    .incbin "\file"
    .size \name, . - \name
    .endm

    resource VIZL_resu1, cdata.bin
    resource VIZL_resu2, eyesvm.bin
    resource VIZL_resu3, eyesvm2.bin
    resource VIZL_resu4, mw.bin

    .section .note.GNU-stack,"",%progbits
