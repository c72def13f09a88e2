// The libFuzzer program of one target; TUNEDESK_FUZZ_ENTRY names its entry function.
#include "fuzz/FuzzTargets.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    return td::fuzz::TUNEDESK_FUZZ_ENTRY(data, size);
}
