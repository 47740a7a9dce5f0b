/// @file cf.hpp
/// @brief cf for C++20: configuration files checked against a schema, read as typed values, edited,
///     saved.
///
/// SPDX-License-Identifier: MIT
///
/// A program declares a cf::schema, and cf::load returns a cf::document that fulfils it, or throws
/// a cf::error that lists every fault of the file with its line, column, path and reason. Values
/// are read and edited through cf::group. The header needs C++20, exceptions, a POSIX system and
/// the library that cf.h declares.
#ifndef CF_HPP
#define CF_HPP

#include "cf/changes.hpp"
#include "cf/sample.hpp"
#include "cf/save.hpp"

#endif
