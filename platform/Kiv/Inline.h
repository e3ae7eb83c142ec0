// What a compiler should not weigh by itself.
#ifndef KIV_INLINE_H
#define KIV_INLINE_H

// For the few functions on the way of each route that compilers find too long to repeat
// where they are used: the calls would cost as much as what is called.
#define KIV_INLINE [[gnu::always_inline]] inline

#endif
