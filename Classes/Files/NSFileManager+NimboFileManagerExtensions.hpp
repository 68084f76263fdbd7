// SPDX-License-Identifier: Apache-2.0
//
// Work on files and folders by their paths. Any thread may call.
//
//     for (const NSString &name : directoryContentsAtPath(u"/tmp"_ns, u"html"_ns)) NSLog(name);
#pragma once

#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Aliases.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Archives.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/AttributeChanges.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Attributes.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Creation.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/CustomIcons.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/DirectorySize.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/ExtendedAttributes.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/FinderMetadata.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/InternetLocations.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Kinds.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Links.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Listing.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/LockFiles.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Moving.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Names.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Removal.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/ZipArchives.hpp"
