// Random numbers from the C library's sequence, which the process shares.
#pragma once

// 0 to 1, both included.
double rand_u();
// A normal deviate. Takes two numbers of the sequence, and two more for each try that is rejected.
double rand_g(float mean, float sigma);
// 0 to n - 1, rarely n.
int rand_i(int n);
