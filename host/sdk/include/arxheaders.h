// Everything a module sees of the host, in one include.
#pragma once
#include "acadstrc.h"
#include "acdocman.h"
#include "aced.h"
#include "acedads.h"
#include "acutads.h"
#include "adscodes.h"
#include "adsdef.h"
#include "dbmain.h"
#include "hostui.h"
#include "rxobject.h"
