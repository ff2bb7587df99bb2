// The frame cycle entry point, for the callbacks that re-process the frame
// from inside the host's callback (Auto Preview, resolution changes). The
// call runs a whole frame cycle before it returns.
#pragma once

#include "abi/spark_abi.h"

extern "C" {
unsigned long* SparkProcess(HostFrameRecord info);
}
