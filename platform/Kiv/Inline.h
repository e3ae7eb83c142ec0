// Forced inlining of the functions that run once for every route.
#ifndef KIV_INLINE_H
#define KIV_INLINE_H

// Inlines a function even where the compiler's heuristics find it too long. It is meant for the
// few functions on the fast path of a route whose call would cost as much as their work.
#define KIV_INLINE [[gnu::always_inline]] inline

#endif
