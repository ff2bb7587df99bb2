#include "effect/paneburst.h"

#include <cstdlib>
#include <cstring>

#include "host/spark_export.h"

extern "C" {
SPARK_EXPORT Paneburst Instance;
}

Paneburst::Paneburst() {
    polygons = static_cast<tagPOLYGON*>(std::calloc(kElementCapacity, sizeof(tagPOLYGON)));
    element_capacity = polygons ? kElementCapacity : 0;
    restart = 1;
    in_mp = 0;
    scale = 1.0f;
    table_seed = -567;
    // The construction tables, from their fixed seeds (rebuilt every frame).
    // Filled by the random-table code once it is linked in.
    std::memset(&info, 0, sizeof info);
    info.last_cell_w = -10;
    info.last_cell_h = -10;
}

Paneburst::~Paneburst() { std::free(polygons); }
