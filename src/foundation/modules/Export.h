#pragma once

/// Marks the declaration of a function that a plugin module may export, however deep in our
/// libraries it is defined. Which of them a module really exports is up to its list of exports.
#ifdef _WIN32
#define TONVALE_EXPORT // the list is enough
#else
#define TONVALE_EXPORT [[gnu::visibility("default")]]
#endif
