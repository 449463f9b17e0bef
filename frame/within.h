// Calls from one record's translators to another's. What an exported name is bound to is settled when a program is
// started, at the cost of a detour in every call; what one translator hands on to another is not to be settled there.
// So a translator that others call has a second name, which stays inside the library.
#pragma once

#ifdef NPXLATE_TRACED
// The traced translators are called by their names.
#define NPXLATE_WITHIN(translator) translator
#define NPXLATE_CALLED_WITHIN(translator)
#define NPXLATE_CALLS_WITHIN(translator)
#else
#define NPXLATE_WITHIN(translator) npxlate_within_##translator

// Where the translator is defined, and where it is called by NPXLATE_WITHIN(translator).
#define NPXLATE_CALLED_WITHIN(translator) \
    extern "C" [[gnu::alias(#translator), gnu::visibility("hidden")]] decltype(translator) NPXLATE_WITHIN(translator);
#define NPXLATE_CALLS_WITHIN(translator) \
    extern "C" [[gnu::visibility("hidden")]] decltype(translator) NPXLATE_WITHIN(translator);
#endif
