// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/archive_classes.hpp>
#include <mezalith/platform/archiver.hpp>

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Keyed archives as text that people can read, compare and mend, and as bytes for programs.
///
/// Both hold the same. As text (JSON, RFC 8259):
///
///     {
///      "format": "mezalith archive",
///      "version": 1,
///      "root": {
///       "class": "MzLineSymbolizer",
///       "id": 1,
///       "strokeColor": "#cc331aff",
///       "strokeWidth": 2,
///       ...
///       "lineDash": {
///        "doubles": [4, 2],
///        "bytes": "AAAAAAAAEEAAAAAAAAAAQA=="
///       }
///      }
///     }
///
/// An object has its class name under "class" and its fields behind it in the order they were
/// written; objects stand within each other. One that stands in the archive more than once has a
/// number under "id" where it stands first, and is {"ref": number} elsewhere; read again, it is one
/// object again. Objects with a text that says all of them are that text, such as colours. "class",
/// "id" and "ref" are the archive's own: fields of these names are not written.
///
/// Numbers are the shortest text that reads back to the same value of their type, those that are
/// not finite the texts "nan", "inf" and "-inf". Bytes are base64 text; bytes of doubles stand as
/// "bytes" beside the numbers themselves as "doubles". Text that is not UTF-8 gets U+FFFD in place
/// of what is wrong. As bytes (CBOR, RFC 8949) numbers and bytes are what they are.
///
/// People may also give bytes of doubles as a list of numbers, or as the bytes alone, order fields
/// as they like, and leave the class name out where one class alone is wanted. Otherwise reading is
/// strict. Refused as a whole are: what is no JSON or CBOR, ends too early, or goes on; text that
/// is not UTF-8; more than 4 MiB, 128 levels or 262144 values; other formats and versions; unknown
/// classes and keys, keys that stand there twice, keys that are missing and not optional; values of
/// other types, or out of their type's range; doubles and bytes that differ; a second object of an
/// id, an id that no object has, and an object that would stand within itself.
namespace mezalith::platform {

/// What a keyed archive held.
struct MEZALITH_EXPORT UnarchivedObject {
    /// Null when there is an error, and when the archive's object is null.
    std::shared_ptr<const Archivable> object;
    /// Why there is no object, in one line: the position ("line 3, column 9", or "byte 17"), the
    /// place as a JSON pointer (RFC 6901), the reason and, for unknown names, the nearest known
    /// one. Empty when there is no error.
    std::string error;
};

/// The archive of `root`, which may be null, as text. Objects within themselves, and objects that
/// would stand too deep to be read again, are written as null.
MEZALITH_EXPORT std::string archivedText(const Archivable* root);
/// The same as bytes.
MEZALITH_EXPORT std::vector<std::byte> archivedBytes(const Archivable* root);

/// The object of an archive, made of `classes` only. If a `rootClass` is given, the object must be
/// of that class and may leave its name out. Never throws, whatever the text.
MEZALITH_EXPORT UnarchivedObject unarchivedText(std::string_view text,
                                                const ArchiveClasses& classes,
                                                std::string_view rootClass = {});
/// The same of bytes.
MEZALITH_EXPORT UnarchivedObject unarchivedBytes(std::span<const std::byte> bytes,
                                                 const ArchiveClasses& classes,
                                                 std::string_view rootClass = {});

}  // namespace mezalith::platform
