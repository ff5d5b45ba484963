// The trained data inside the library, and the one place that names it.
#pragma once

// The face cascade; see docs/models.md for the form of the stream.
extern "C" const unsigned char class_dat[];
extern "C" const unsigned char class_dat_end[];
