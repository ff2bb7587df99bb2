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
    // The construction tables, from their fixed seeds. Both are rebuilt from
    // the Seed every frame; these values only serve code that reads the
    // tables before the first frame. The order of the generator calls is
    // fixed: the generator's shuffle table is shared.
    table_seed = -567;
    gradientTabInit(-665);
    build_random_table(table_seed);
    std::memset(&info, 0, sizeof info);
    info.last_cell_w = -10;
    info.last_cell_h = -10;
}

Paneburst::~Paneburst() { std::free(polygons); }
