#include "framework/control.h"

#include "abi/spark_abi.h"

void ControlQ7::show_control(int control, bool hide) {
    if (hide)
        sparkDisableParameter(1, control);
    else
        sparkEnableParameter(1, control);
}
