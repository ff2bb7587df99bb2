// Every control descriptor of the plug-in with its initial value, range,
// step, flags, title and callback, and the auxiliary record of the control
// object bound to it. The host reads them by name when it builds the pages
// and writes the user's changes back into them.
//
// Titles are exact, trailing blanks included: the host lays the pages out
// from them.
#include "host/descriptors.h"

#include "host/callbacks.h"
#include "host/spark_export.h"

// A control bound to a slider object is declared together with its auxiliary
// record, so that the record's range is the descriptor's by construction.
#define INT_SLIDER(n, value, lo, hi, step, flags, title, cb)                         \
    SPARK_EXPORT SparkIntDesc SparkInt##n = {value, lo, hi, step, flags, title, cb}; \
    SPARK_EXPORT IntegerRangeQ7 AuxQ7Integer##n = {lo, hi}
#define FLOAT_SLIDER(n, value, lo, hi, step, title, cb)                                \
    SPARK_EXPORT SparkFloatDesc SparkFloat##n = {value, lo, hi, step, 0, title, cb}; \
    SPARK_EXPORT FloatRangeQ7 AuxQ7Float##n = {lo, hi}
#define ANGLE_SLIDER(n, value, lo, hi, step, title, cb)                                \
    SPARK_EXPORT SparkFloatDesc SparkFloat##n = {value, lo, hi, step, 0, title, cb}; \
    SPARK_EXPORT FloatRangeQ7 AuxQ7Angle##n = {lo, hi}
// A position: the x slider at n, the y slider at n + 1, both calling the x
// control's callback, both ranging over -500 ... 500 percent.
#define POSITION(nx, ny, x, y, x_title, y_title, cb)                                          \
    SPARK_EXPORT SparkFloatDesc SparkFloat##nx = {x, -500.0f, 500.0f, 0.05f, 0, x_title, cb}; \
    SPARK_EXPORT SparkFloatDesc SparkFloat##ny = {y, -500.0f, 500.0f, 0.05f, 0, y_title, cb}; \
    SPARK_EXPORT PositionRangeQ7 AuxQ7Position##nx = {-500.0f, 500.0f, -500.0f, 500.0f}
// A checkbox object keeps an exclusive group; none of this plug-in's has members.
#define CHECKBOX(n, value, title, cb)                                   \
    SPARK_EXPORT SparkBooleanDesc SparkBoolean##n = {value, title, cb}; \
    SPARK_EXPORT CheckboxGroupQ7 AuxQ7Checkbox##n = {}

extern "C" {

// ---- Input names ----
SPARK_EXPORT SparkStringDesc SparkString0 = {"1: Disintegrate", "%s", 16, nullptr};
SPARK_EXPORT SparkStringDesc SparkString1 = {"2: Background", "%s", 16, nullptr};
SPARK_EXPORT SparkStringDesc SparkString2 = {"3: 2D Matte", "%s", 16, nullptr};
SPARK_EXPORT SparkStringDesc SparkString3 = {"4: 3D Matte", "%s", 16, nullptr};

// ---- Page 0 "Paneburst" ----
INT_SLIDER(6, 12, 1, 100, 1, 8, "X Elements: %d", dlcb_6);
INT_SLIDER(7, 9, 1, 100, 1, 8, "Y Elements: %d", dlcb_7);
FLOAT_SLIDER(8, -192.0f, -4000.0f, -1.0f, 1.0f, "Foreground Z: %.2f", dlcb_8);
FLOAT_SLIDER(9, -12.0f, -4000.0f, -1.0f, 1.0f, "Maximum Z: %.2f", dlcb_9);
CHECKBOX(10, 0, "Z Pop Off   ", dlcb_10);
CHECKBOX(11, 0, "Omni Z Direction   ", dlcb_11);
CHECKBOX(12, 0, "Z Sort   ", dlcb_12);
FLOAT_SLIDER(13, 0.0f, -100.0f, 100.0f, 0.5f, "X Speed: %.2f", dlcb_13);
FLOAT_SLIDER(14, 0.0f, -100.0f, 100.0f, 0.5f, "Y Speed: %.2f", dlcb_14);
FLOAT_SLIDER(15, 5.0f, -100.0f, 100.0f, 0.5f, "Z Speed: %.2f", dlcb_15);
FLOAT_SLIDER(16, 0.0f, 0.0f, 100.0f, 0.5f, "X Speed Var: %.2f", dlcb_16);
FLOAT_SLIDER(17, 0.0f, 0.0f, 100.0f, 0.5f, "Y Speed Var: %.2f", dlcb_17);
FLOAT_SLIDER(18, 10.0f, 0.0f, 100.0f, 0.5f, "Z Speed Var: %.2f", dlcb_18);
SPARK_EXPORT SparkPupDesc SparkPup19 = {
    0, 4, dlcb_19, {"Demos: Explosion  ", "Demos: Confetti  ", "Demos: VenetianV  ", "Demos:  VenetianH  "}};
SPARK_EXPORT ListInfoQ7 AuxQ7List19 = {0, 4, {"Explosion  ", "Confetti  ", "VenetianV  ", " VenetianH  "}};
FLOAT_SLIDER(20, 60.0f, -360.0f, 360.0f, 0.5f, "X Rot. Speed: %.2f", dlcb_20);
FLOAT_SLIDER(21, 60.0f, -360.0f, 360.0f, 0.5f, "Y Rot. Speed: %.2f", dlcb_21);
FLOAT_SLIDER(22, 60.0f, -360.0f, 360.0f, 0.5f, "Z Rot. Speed: %.2f", dlcb_22);
FLOAT_SLIDER(23, 100.0f, 0.0f, 100.0f, 0.5f, "X Rot. Speed Var: %.2f", dlcb_23);
FLOAT_SLIDER(24, 100.0f, 0.0f, 100.0f, 0.5f, "Y Rot. Speed Var: %.2f", dlcb_24);
FLOAT_SLIDER(25, 100.0f, 0.0f, 100.0f, 0.5f, "Z Rot. Speed Var: %.2f", dlcb_25);
INT_SLIDER(26, 200, 1, 999, 17, 0, "Seed: %d", dlcb_26);
SPARK_EXPORT SparkFloatDesc SparkFloat27 = {0.0f, 0.0f, 100.0f, 0.1f, 0, "Blend: %.2f", Blend1CB};
SPARK_EXPORT SparkBooleanDesc SparkBoolean28 = {0, "Clear Overlay", Overlay1CB};
SPARK_EXPORT SparkPushDesc SparkPush29 = {"Restart Paneburst   ", dlcb_29};
SPARK_EXPORT SparkPupDesc SparkPup30 = {1,
                                        4,
                                        dlcb_30,
                                        {"Render Quality: High Quality  ", "Render Quality: Med Quality  ",
                                         "Render Quality: Low Quality  ", "Render Quality: Wireframe  "}};
SPARK_EXPORT ListInfoQ7 AuxQ7List30 = {
    1, 4, {"High Quality  ", "Med Quality  ", "Low Quality  ", "Wireframe  "}};
SPARK_EXPORT SparkPushDesc SparkPush31 = {"Help", HelpCB};
SPARK_EXPORT SparkPushDesc SparkPush32 = {"Reset", Reset1CB};
SPARK_EXPORT SparkPupDesc SparkPup33 = {
    0, 9, SetRes1CB, {"FULL", "1/2", "1/3", "1/4", "1/6", "1/8", "1/12", "1/16", "1/32"}};
SPARK_EXPORT SparkBooleanDesc SparkBoolean34 = {1, "Auto Preview", Auto1CB};

// ---- Page 1 "Light" ----
CHECKBOX(35, 0, "Use Light   ", dlcb_35);
POSITION(36, 37, 20.0f, 80.0f, "Light X: %.2f", "Light Y: %.2f", dlcb_36);
FLOAT_SLIDER(38, 0.2f, -5.0f, 5.0f, 0.005f, "LightZ: %.3f", dlcb_38);
FLOAT_SLIDER(39, 1.0f, 0.0f, 2.0f, 0.01f, "Light Brightness: %.2f", dlcb_39);
FLOAT_SLIDER(40, 44.0f, 1.0f, 1000.0f, 1.0f, "Gloss: %.2f", dlcb_40);
// White; the colour object's record starts out holding the same word.
SPARK_EXPORT SparkColorDesc SparkColor42 = {0xFFFFFFFFu, dlcb_42};
SPARK_EXPORT ColourSaveQ7 AuxQ7Colour42 = {0xFFFFFFFFu};
SPARK_EXPORT SparkFloatDesc SparkFloat43 = {100.0f, 0.0f, 100.0f, 0.2f, 0, "Light Colour R: %.2f", SetLightColourCB};
SPARK_EXPORT SparkFloatDesc SparkFloat44 = {100.0f, 0.0f, 100.0f, 0.2f, 0, "Light Colour G: %.2f", SetLightColourCB};
SPARK_EXPORT SparkFloatDesc SparkFloat45 = {100.0f, 0.0f, 100.0f, 0.2f, 0, "Light Colour B: %.2f", SetLightColourCB};
CHECKBOX(46, 0, "Lit Background   ", dlcb_46);
FLOAT_SLIDER(47, -0.9f, -5.0f, -0.0001f, 0.001f, "Background Z: %.3f", dlcb_47);
CHECKBOX(49, 0, "Use 2D Matte   ", dlcb_49);
CHECKBOX(50, 0, "Invert 2D Matte   ", dlcb_50);
CHECKBOX(51, 0, "Use 3D Matte   ", dlcb_51);
CHECKBOX(52, 0, "Invert 3D Matte   ", dlcb_52);
SPARK_EXPORT SparkBooleanDesc SparkBoolean57 = {0, "Clear Overlay", Overlay2CB};
SPARK_EXPORT SparkPushDesc SparkPush58 = {"Restart Paneburst   ", dlcb_58};
SPARK_EXPORT SparkPushDesc SparkPush60 = {"Help", HelpCB};
SPARK_EXPORT SparkPushDesc SparkPush61 = {"Reset", Reset2CB};
SPARK_EXPORT SparkPupDesc SparkPup62 = {
    0, 9, SetRes2CB, {"FULL", "1/2", "1/3", "1/4", "1/6", "1/8", "1/12", "1/16", "1/32"}};
SPARK_EXPORT SparkBooleanDesc SparkBoolean63 = {1, "Auto Preview", Auto2CB};

// ---- Page 2 "Forces" ----
CHECKBOX(64, 0, "Use Wind   ", dlcb_64);
POSITION(65, 66, 90.0f, 40.0f, "Wind Source X: %.2f", "Wind Source Y: %.2f", dlcb_65);
POSITION(67, 68, 10.0f, 40.0f, "Wind Target X: %.2f", "Wind Target Y: %.2f", dlcb_67);
FLOAT_SLIDER(69, 5.0f, 0.0f, 180.0f, 0.05f, "Wind Speed: %.2f", dlcb_69);
ANGLE_SLIDER(70, 10.0f, 0.0f, 180.0f, 0.01f, "Wind Spread: %.2f", dlcb_70);
CHECKBOX(71, 0, "Use Repulsion   ", dlcb_71);
POSITION(72, 73, 40.0f, 30.0f, "Repulsion X: %.2f", "Repulsion Y: %.2f", dlcb_72);
FLOAT_SLIDER(74, 10.0f, 0.0f, 100.0f, 0.5f, "Rep. Strength: %.2f", dlcb_74);
CHECKBOX(75, 0, "Use Gravity   ", dlcb_75);
FLOAT_SLIDER(76, 1.0f, 0.0f, 30.0f, 0.05f, "Gravity: %.3f", dlcb_76);
ANGLE_SLIDER(77, 270.0f, 0.0f, 360.0f, 0.005f, "Gravity Angle: %.2f", dlcb_77);
CHECKBOX(78, 0, "Use Attraction   ", dlcb_78);
POSITION(79, 80, 80.0f, 80.0f, "Attraction X: %.2f", "Attraction Y: %.2f", dlcb_79);
FLOAT_SLIDER(81, 10.0f, 0.0f, 100.0f, 0.5f, "Attr. Strength: %.2f", dlcb_81);
CHECKBOX(82, 0, "Use Swirling   ", dlcb_82);
FLOAT_SLIDER(83, 6.0f, 0.0f, 100.0f, 0.5f, "Swirl Density: %.2f", dlcb_83);
FLOAT_SLIDER(84, 2.0f, 0.0f, 100.0f, 0.5f, "Swirl Magnitude: %.2f", dlcb_84);
SPARK_EXPORT SparkBooleanDesc SparkBoolean86 = {0, "Clear Overlay", Overlay3CB};
SPARK_EXPORT SparkPushDesc SparkPush87 = {"Restart Paneburst   ", dlcb_87};
SPARK_EXPORT SparkPushDesc SparkPush89 = {"Help", HelpCB};
SPARK_EXPORT SparkPushDesc SparkPush90 = {"Reset", Reset3CB};
SPARK_EXPORT SparkPupDesc SparkPup91 = {
    0, 9, SetRes3CB, {"FULL", "1/2", "1/3", "1/4", "1/6", "1/8", "1/12", "1/16", "1/32"}};
SPARK_EXPORT SparkBooleanDesc SparkBoolean92 = {1, "Auto Preview", Auto3CB};

// ---- Page 3 "Import AIFF" ----
// An animation channel that only receives imported amplitude keys.
SPARK_EXPORT SparkFloatDesc SparkUserFloat93 = {0.0f, -1000.0f, 1000.0f, 0.001f, 0, "Amplitude Import: %.1f",
                                                nullptr};
SPARK_EXPORT SparkPushDesc SparkPush114 = {"Import Amplitude File", import_aiff_CB};

}  // extern "C"
