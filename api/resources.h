// The table of named resources.
#pragma once

// Makes VIZL_resData and VIZL_resType answer null until the next VIZL_resInit.
void FinalizeResources();
