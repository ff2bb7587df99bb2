#include "host/channel_editor.h"

#include "abi/spark_abi.h"
#include "host/spark_export.h"

namespace {

struct Folder {
    const char* name;
    int controls[10];  // ends at the first 0
};

// Checkboxes, popups, push buttons, the integer controls 6 and 7 and the
// colour pot get no entry: only channels worth animating are listed.
const Folder kFolders[] = {
    {"Depth", {8, 9}},
    {"Style", {26}},
    {"Speed", {13, 14, 15, 16, 17, 18}},
    {"Rotation", {20, 21, 22, 23, 24, 25}},
    {"Light", {36, 37, 38, 39, 40, 43, 44, 45, 47}},
    {"Wind", {65, 66, 67, 68, 69, 70}},
    {"Repel", {72, 73, 74}},
    {"Gravity", {76, 77}},
    {"Attract", {79, 80, 81}},
    {"Swirl", {83, 84}},
    {"Common", {27, 93}},
};

// The amplitude channel is added with second argument 0, every other entry
// with 1.
constexpr int kAmplitudeImport = 93;

struct ChannelName {
    int control;
    const char* name;
};

// Blend (27) and the amplitude channel (93) keep the host's names.
const ChannelName kNames[] = {
    {8, "Foreground Z"},      {9, "Maximum Z"},         {26, "Seed"},
    {13, "X Speed"},          {14, "Y Speed"},          {15, "Z Speed"},
    {16, "X Speed Var"},      {17, "Y Speed Var"},      {18, "Z Speed Var"},
    {20, "X Rot. Speed"},     {21, "Y Rot. Speed"},     {22, "Z Rot. Speed"},
    {23, "X Rot. Speed Var"}, {24, "Y Rot. Speed Var"}, {25, "Z Rot. Speed Var"},
    {36, "Light X"},          {37, "Light Y"},          {38, "LightZ"},
    {39, "Light Brightness"}, {40, "Gloss"},            {43, "Light Colour R"},
    {44, "Light Colour G"},   {45, "Light Colour B"},   {47, "Background Z"},
    {65, "Wind Source X"},    {66, "Wind Source Y"},    {67, "Wind Target X"},
    {68, "Wind Target Y"},    {69, "Wind Speed"},       {70, "Wind Spread"},
    {72, "Repulsion X"},      {73, "Repulsion Y"},      {74, "Rep. Strength"},
    {76, "Gravity"},          {77, "Gravity Angle"},    {79, "Attraction X"},
    {80, "Attraction Y"},     {81, "Attr. Strength"},   {83, "Swirl Density"},
    {84, "Swirl Magnitude"},
};

}  // namespace

extern "C" SPARK_EXPORT int SparkChannelEditor(void) {
    int result = 0;
    for (const Folder& folder : kFolders) {
        sparkCeAddFolder(1, folder.name);
        for (int control : folder.controls) {
            if (control == 0) break;
            result = sparkCeAddControl(2, control == kAmplitudeImport ? 0 : 1, control);
        }
    }
    return result;
}

int RenameChannelEditorEntries() {
    int result = 0;
    for (const ChannelName& entry : kNames) result = sparkSetControlName(1, entry.control, entry.name);
    return result;
}
