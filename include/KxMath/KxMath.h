// The whole interface of the library.
//
// **Threads.** The library starts none and has no global state. Distinct objects may be used by distinct threads at the
// same time, copies that share lists of Qt too. One object may be used by several threads only with the members that
// its class names as reading ones; no member is const.
#pragma once

#include "KxConicity.h"
#include "KxInterpolant.h"
#include "KxLevelHistogram.h"
#include "KxMathExport.h"
#include "KxMathVersion.h"
#include "KxMatrixCloud.h"
#include "KxMatrixWithHistos.h"
#include "KxMetro.h"
#include "KxPlacement.h"
#include "KxPointCloud.h"
#include "KxPoints.h"
#include "KxPrimitives.h"
#include "KxProfile.h"
#include "KxProfileZ.h"
#include "KxRecording.h"
#include "KxWheelDetection.h"
