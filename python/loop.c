/* One call for a buffer of records: what npxlate.Translator.many of the Python package spends its time in. Plain C, so
 * that it serves every Python; the package loads it as it loads the library. */
#include <stddef.h>

#include <npxlate/npxlate.h>

/* How the translator is called; the numbers are known to _translator.py. */
enum kind { FORWARD = 0, REVERSE = 1, REVERSE_BY_ARGUMENT = 2 };

NPXLATE_API void npxlate_loop(void (*translator)(void), int kind, const unsigned char* in, size_t in_stride,
                              unsigned char* out, size_t out_stride, size_t count, int32_t length, int32_t* statuses,
                              uint32_t* lengths, const void* argument);

void npxlate_loop(void (*translator)(void), int kind, const unsigned char* in, size_t in_stride, unsigned char* out,
                  size_t out_stride, size_t count, int32_t length, int32_t* statuses, uint32_t* lengths,
                  const void* argument) {
    for (size_t i = 0; i < count; ++i, in += in_stride, out += out_stride) {
        switch (kind) {
            case FORWARD:
                statuses[i] = ((npxlate_result_fn*)translator)(in, length, out, &lengths[i]);
                break;
            case REVERSE:
                statuses[i] = ((npxlate_reverse_fn*)translator)(in, length, out);
                break;
            default:
                statuses[i] = ((npxlate_reverse_by_key_fn*)translator)(in, length, out, argument);
                break;
        }
    }
}
