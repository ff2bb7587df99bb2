// The control descriptors the host reads by name, and the auxiliary records
// of the control objects bound to them. Control N lies on page (N - 6) / 29.
#pragma once

#include "framework/control.h"
#include "abi/spark_abi.h"

extern "C" {
// Input names.
extern SparkStringDesc SparkString0, SparkString1, SparkString2, SparkString3;

// Page 0 "Paneburst".
extern SparkIntDesc SparkInt6, SparkInt7;
extern SparkFloatDesc SparkFloat8, SparkFloat9;
extern SparkBooleanDesc SparkBoolean10, SparkBoolean11, SparkBoolean12;
extern SparkFloatDesc SparkFloat13, SparkFloat14, SparkFloat15, SparkFloat16, SparkFloat17, SparkFloat18;
extern SparkPupDesc SparkPup19;
extern SparkFloatDesc SparkFloat20, SparkFloat21, SparkFloat22, SparkFloat23, SparkFloat24, SparkFloat25;
extern SparkIntDesc SparkInt26;
extern SparkFloatDesc SparkFloat27;  // Blend
extern SparkBooleanDesc SparkBoolean28;
extern SparkPushDesc SparkPush29;
extern SparkPupDesc SparkPup30;
extern SparkPushDesc SparkPush31, SparkPush32;
extern SparkPupDesc SparkPup33;  // working resolution
extern SparkBooleanDesc SparkBoolean34;

// Page 1 "Light".
extern SparkBooleanDesc SparkBoolean35;
extern SparkFloatDesc SparkFloat36, SparkFloat37, SparkFloat38, SparkFloat39, SparkFloat40;
extern SparkColorDesc SparkColor42;
extern SparkFloatDesc SparkFloat43, SparkFloat44, SparkFloat45;
extern SparkBooleanDesc SparkBoolean46;
extern SparkFloatDesc SparkFloat47;
extern SparkBooleanDesc SparkBoolean49, SparkBoolean50, SparkBoolean51, SparkBoolean52;
extern SparkBooleanDesc SparkBoolean57;
extern SparkPushDesc SparkPush58, SparkPush60, SparkPush61;
extern SparkPupDesc SparkPup62;
extern SparkBooleanDesc SparkBoolean63;

// Page 2 "Forces".
extern SparkBooleanDesc SparkBoolean64;
extern SparkFloatDesc SparkFloat65, SparkFloat66, SparkFloat67, SparkFloat68, SparkFloat69, SparkFloat70;
extern SparkBooleanDesc SparkBoolean71;
extern SparkFloatDesc SparkFloat72, SparkFloat73, SparkFloat74;
extern SparkBooleanDesc SparkBoolean75;
extern SparkFloatDesc SparkFloat76, SparkFloat77;
extern SparkBooleanDesc SparkBoolean78;
extern SparkFloatDesc SparkFloat79, SparkFloat80, SparkFloat81;
extern SparkBooleanDesc SparkBoolean82;
extern SparkFloatDesc SparkFloat83, SparkFloat84;
extern SparkBooleanDesc SparkBoolean86;
extern SparkPushDesc SparkPush87, SparkPush89, SparkPush90;
extern SparkPupDesc SparkPup91;
extern SparkBooleanDesc SparkBoolean92;

// Page 3 "Import AIFF".
extern SparkFloatDesc SparkUserFloat93;
extern SparkPushDesc SparkPush114;

// Auxiliary records.
extern ListInfoQ7 AuxQ7List19, AuxQ7List30;
extern IntegerRangeQ7 AuxQ7Integer6, AuxQ7Integer7, AuxQ7Integer26;
extern FloatRangeQ7 AuxQ7Float8, AuxQ7Float9;
extern FloatRangeQ7 AuxQ7Float13, AuxQ7Float14, AuxQ7Float15, AuxQ7Float16, AuxQ7Float17, AuxQ7Float18;
extern FloatRangeQ7 AuxQ7Float20, AuxQ7Float21, AuxQ7Float22, AuxQ7Float23, AuxQ7Float24, AuxQ7Float25;
extern FloatRangeQ7 AuxQ7Float38, AuxQ7Float39, AuxQ7Float40, AuxQ7Float47;
extern FloatRangeQ7 AuxQ7Float69, AuxQ7Float74, AuxQ7Float76, AuxQ7Float81, AuxQ7Float83, AuxQ7Float84;
extern FloatRangeQ7 AuxQ7Angle70, AuxQ7Angle77;
extern CheckboxGroupQ7 AuxQ7Checkbox10, AuxQ7Checkbox11, AuxQ7Checkbox12;
extern CheckboxGroupQ7 AuxQ7Checkbox35, AuxQ7Checkbox46;
extern CheckboxGroupQ7 AuxQ7Checkbox49, AuxQ7Checkbox50, AuxQ7Checkbox51, AuxQ7Checkbox52;
extern CheckboxGroupQ7 AuxQ7Checkbox64, AuxQ7Checkbox71, AuxQ7Checkbox75, AuxQ7Checkbox78, AuxQ7Checkbox82;
extern PositionRangeQ7 AuxQ7Position36, AuxQ7Position65, AuxQ7Position67, AuxQ7Position72, AuxQ7Position79;
extern ColourSaveQ7 AuxQ7Colour42;
}
