#include "host/descriptors.h"

#include "host/spark_export.h"

extern "C" {
SPARK_EXPORT SparkFloatDesc SparkFloat27 = {0.0f, 0.0f, 100.0f, 0.1f, 0, "Blend: %.2f", nullptr};
SPARK_EXPORT SparkPupDesc SparkPup33 = {
    0, 9, nullptr, {"FULL", "1/2", "1/3", "1/4", "1/6", "1/8", "1/12", "1/16", "1/32"}};
}
