#pragma once

/// Marks what the shared library shows; everything else is compiled with hidden visibility.
#define CORVANE_EXPORT [[gnu::visibility("default")]]
