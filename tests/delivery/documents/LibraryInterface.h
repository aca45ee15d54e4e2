#pragma once

#include "RolesDocument.h"

/// What docs/roles.md must state: from the meta-objects and from the field tables, which
/// tst_every_item compares with the classes.
InterfaceLines libraryInterface();
