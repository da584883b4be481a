// The whole interface of the library.
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
