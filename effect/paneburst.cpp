#include "effect/paneburst.h"

#include "host/spark_export.h"

extern "C" {
SPARK_EXPORT Paneburst Instance;
}
