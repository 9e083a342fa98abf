// SPDX-License-Identifier: MIT
// The IDs and display names of real cameras.
#include "library/genicam/Discovery.h"

#include <algorithm>
#include <cctype>
#include <map>

namespace orvalis {
namespace {

constexpr std::size_t maxNameLength = ORVALIS_NAME_SIZE - 1;
/// The part of DeviceUserID in a display name. GigE Vision cameras store 15 bytes, USB3 Vision
/// cameras 63.
constexpr std::size_t maxUserNameLength = 24;
/// The part of a serial number in a display name. GigE Vision cameras store 15 bytes, USB3 Vision
/// cameras 63.
constexpr std::size_t maxSerialNumberLength = 20;

/// IDs become parts of file names: permits letters, digits and harmless characters.
std::string sanitized(std::string text)
{
    for (char &c : text) {
        const bool plain = std::isalnum(static_cast<unsigned char>(c)) != 0 && (c & 0x80) == 0;
        if (!plain && c != '-' && c != '.' && c != '_')
            c = '_';
    }
    return text;
}

std::string joined(std::initializer_list<std::string> parts, const char *separator)
{
    std::string text;
    for (const std::string &part : parts)
        if (!part.empty())
            text += (text.empty() ? "" : separator) + part;
    return text;
}

std::string lastOf(const std::string &text, std::size_t length)
{
    return text.size() > length ? text.substr(text.size() - length) : text;
}

const std::string &numberOf(const CameraRecord &camera)
{
    return camera.serialNumber.empty() ? camera.physicalId : camera.serialNumber;
}

/// The serial number identifies the camera and is never truncated; vendor and model are
/// informative.
std::string idOf(const CameraRecord &camera)
{
    std::string id = joined({camera.vendor, camera.model, numberOf(camera)}, "-");
    if (id.size() > maxNameLength)
        id = joined({camera.model, numberOf(camera)}, "-");
    return sanitized(lastOf(id, maxNameLength));
}

/// Size and code point of the UTF-8 sequence at `at`. An invalid byte counts as Latin-1, where
/// bytes are code points.
std::pair<std::size_t, unsigned> characterAt(const std::string &text, std::size_t at)
{
    const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    const unsigned first = byte(at);
    const std::size_t size = first < 0xC2 || first > 0xF4 ? 1
                             : first < 0xE0               ? 2
                             : first < 0xF0               ? 3
                                                          : 4;
    unsigned code = size == 1 ? first : first & (0x7FU >> size);
    for (std::size_t i = 1; i < size; ++i) {
        if (at + i >= text.size() || (byte(at + i) & 0xC0U) != 0x80U)
            return {1, first};
        code = code << 6 | (byte(at + i) & 0x3FU);
    }
    return {size, code};
}

/// Converts a camera's text (UTF-8 or Latin-1) to Latin-1: one byte for each character, so it can
/// be truncated anywhere. Removes control characters and surrounding spaces.
std::string latin1(const std::string &text)
{
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const auto [size, code] = characterAt(text, at);
        const bool control = code < 0x20 || (code >= 0x7F && code < 0xA0);
        result += control ? ' ' : code > 0xFF ? '?' : static_cast<char>(code);
        at += size;
    }
    const std::size_t begin = result.find_first_not_of(' ');
    return begin == std::string::npos
               ? std::string()
               : result.substr(begin, result.find_last_not_of(' ') - begin + 1);
}

/// Truncates model and vendor first; the notes at the end, the serial number and the user-defined
/// name are more important.
std::string displayNameOf(const CameraRecord &camera, const std::string &mark)
{
    std::string tail = " (" + lastOf(latin1(numberOf(camera)), maxSerialNumberLength) + ")";
    tail += mark.empty() ? "" : " " + mark;
    if (camera.isGige() && !camera.route)
        tail += " - other subnet " + camera.address;
    const std::size_t room = tail.size() < maxNameLength ? maxNameLength - tail.size() : 0;
    const std::string userName = latin1(camera.userName).substr(0, maxUserNameLength);
    std::string name;
    for (const std::string &kind :
         {joined({latin1(camera.vendor), latin1(camera.model)}, " "), latin1(camera.model)}) {
        name = joined({userName, kind}, ": ");
        if (name.size() <= room)
            break;
    }
    return lastOf(name.substr(0, room) + tail, maxNameLength);
}

/// Qualifies an ID with the camera's address, because a number such as "-2" would depend on the
/// order of the answers.
std::string marked(const std::string &id, const std::string &mark)
{
    const std::string tail = sanitized("-" + mark);
    return tail.size() < maxNameLength ? id.substr(0, maxNameLength - tail.size()) + tail : id;
}

using Text = std::string CameraRecord::*;

/// Texts that distinguish cameras with the same ID: first the address, then the hardware.
constexpr Text marks[] = {&CameraRecord::address, &CameraRecord::physicalId};

/// The cameras that share their text with others.
std::vector<CameraRecord *> duplicates(std::vector<CameraRecord> &cameras, Text text)
{
    std::map<std::string, int> count;
    for (const CameraRecord &camera : cameras)
        ++count[camera.*text];
    std::vector<CameraRecord *> found;
    for (CameraRecord &camera : cameras)
        if (count[camera.*text] > 1)
            found.push_back(&camera);
    return found;
}

} // namespace

void nameCameras(std::vector<CameraRecord> &cameras)
{
    for (CameraRecord &camera : cameras) {
        camera.id = idOf(camera);
        camera.displayName = displayNameOf(camera, {});
    }
    for (const Text mark : marks) {
        for (CameraRecord *camera : duplicates(cameras, &CameraRecord::id)) {
            if ((camera->*mark).empty())
                continue;
            camera->id = marked(camera->id, camera->*mark);
            camera->displayName = displayNameOf(*camera, camera->*mark);
        }
    }
    for (CameraRecord *camera : duplicates(cameras, &CameraRecord::displayName))
        camera->displayName = camera->id;
}

} // namespace orvalis
