// The control descriptors the host reads by name.
#pragma once

#include "host/spark_abi.h"

extern "C" {
extern SparkFloatDesc SparkFloat27;  // Blend
extern SparkPupDesc SparkPup33;      // working resolution, page 0
}
