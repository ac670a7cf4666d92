#pragma once

/// Marks what a shared library offers; everything else is built with hidden visibility.
#define QD_EXPORT __attribute__((visibility("default")))
