// The identifiers for C++ clients.
#include "JobObjects_i.c"
