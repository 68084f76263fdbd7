// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "Classes/MetaData/MetaDataImporter.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace nimbo {

/// Adds the importers of a folder, in listing order, except those that register themselves at run time.
void loadPluginsFromFolder(std::vector<NSString> &target, const NSString &folder);

/// The paths of the installed importers, the most important first: those that the importer tool lists, or, when
/// it gives no list by the deadline, those that lie in the folders. None at all when the tool's output is not
/// UTF-8.
std::vector<NSString> listMDImporters(const MetaDataImporterLocations &locations, const Deadline &deadline);

}  // namespace nimbo
