// Marks what leaves a shared library; everything else is built hidden.
#ifndef KIV_EXPORT_H
#define KIV_EXPORT_H

#define OV_EXPORT __attribute__((visibility("default")))

#endif
