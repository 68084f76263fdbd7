// SPDX-License-Identifier: Apache-2.0
//
// Attributes of declarations, for headers that are installed. They say nothing of threads.
//
//     namespace NIMBO_PUBLIC nimbo {
//     const unichar *unitsOf(const NSString &string NIMBO_LIFETIMEBOUND);
//     }  // namespace nimbo
#pragma once

/// Stands in front of the name of a namespace whose functions and classes a library shows to its users:
/// `namespace NIMBO_PUBLIC nimbo {`. Every public header has it, and no other; all else is hidden.
#define NIMBO_PUBLIC [[gnu::visibility("default")]]

/// Marks a parameter or object that the result borrows from, so that compilers which know the attribute warn
/// when the result outlives it. For the object of a member function it stands behind `const` and `noexcept`.
#if defined(__clang__)
#define NIMBO_LIFETIMEBOUND [[clang::lifetimebound]]
#else
#define NIMBO_LIFETIMEBOUND
#endif
