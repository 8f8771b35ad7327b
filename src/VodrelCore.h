/// All of VodrelCore for programs that link the library.
#pragma once

#include "core/Log.h"
#include "core/Modules.h"
#include "core/Nodes.h"
#include "core/StartUp.h"
#include "data/DataPtr.h"
#include "data/Geometry.h"
#include "data/Matrix.h"
#include "data/ParticleGroup.h"
#include "data/Waveform.h"
#include "experiment/Experiment.h"
#include "files/DFile.h"
#include "files/DIni.h"
#include "files/PathUtils.h"
#include "foundation/DArray.h"
#include "foundation/DString.h"
#include "foundation/DStringArray.h"
