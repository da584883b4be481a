// The whole interface of the library but KxMathTypes.h, which needs the headers of KxMath and Qt.
#pragma once

#include "Calibration.h"
#include "CalibrationObject.h"
#include "Conicity.h"
#include "CrossSection.h"
#include "Error.h"
#include "Export.h"
#include "FileContents.h"
#include "Json.h"
#include "PointFile.h"
#include "Profile.h"
#include "ProfileFile.h"
#include "Progress.h"
#include "Range.h"
#include "Recording.h"
#include "Wheel.h"
