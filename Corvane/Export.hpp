#pragma once

/// Marks what the shared library shows; everything else is compiled with hidden visibility. Written in the compilers'
/// own syntax, as the standard's may not stand behind `friend` or `static`.
#define CORVANE_EXPORT __attribute__((visibility("default")))
