// The mark of everything that a shared library exports. The libraries are compiled with hidden
// visibility, so an unmarked class or function cannot be linked against from outside.
#ifndef KIV_EXPORT_H
#define KIV_EXPORT_H

// Exports one function, variable or class. On a class it also exports the type information,
// which dynamic_cast and catch need to recognise the class across library borders.
#define OV_EXPORT __attribute__((visibility("default")))

#endif
