#pragma once
// Symbols the host looks up by name in the plug-in file. Everything else is hidden.
#define SPARK_EXPORT __attribute__((visibility("default")))
