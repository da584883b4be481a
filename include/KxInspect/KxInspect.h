// The whole interface of the library but KxMathTypes.h, which needs the headers of KxMath and Qt.
//
// **Names of files.** A path that is passed to this library is the bytes by which the system names the file: UTF-8 as a
// rule, but any bytes are taken. Results, warnings, reports of progress and the sentences of errors are UTF-8: they name a
// file with %XX in place of each byte that is no part of UTF-8 (0xFC is %FC), for readers, not for opening it.
//
// **Threads.** The library starts none and keeps nothing between calls. Distinct objects may be used by distinct threads
// at the same time, copies of results too; one object may be read by several threads while none writes it. Functions may
// run at once, also on the same input files, as long as no two of them write the same file or folder.
#pragma once

#include "AtomicFile.h"
#include "Calibration.h"
#include "CalibrationObject.h"
#include "Conicity.h"
#include "Consist.h"
#include "CrossSection.h"
#include "Error.h"
#include "Export.h"
#include "FileContents.h"
#include "Grid.h"
#include "HeightMap.h"
#include "HeightMapFile.h"
#include "InputFile.h"
#include "Interval.h"
#include "Json.h"
#include "Limits.h"
#include "PassIdentity.h"
#include "PassKept.h"
#include "PassResult.h"
#include "PassSheet.h"
#include "PassWheels.h"
#include "Patches.h"
#include "PointFile.h"
#include "Profile.h"
#include "ProfileChain.h"
#include "ProfileFile.h"
#include "Progress.h"
#include "Range.h"
#include "Recording.h"
#include "RecordingGroups.h"
#include "Scan.h"
#include "Settings.h"
#include "SplineArea.h"
#include "StationSetup.h"
#include "TaskRunner.h"
#include "TextForm.h"
#include "Train.h"
#include "Wheel.h"
