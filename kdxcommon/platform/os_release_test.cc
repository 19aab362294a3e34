#include "kdxcommon/platform/os_release.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

#include "kdxcommon/platform/linux_facts.h"
#include "kdxcommon/platform/os_identity.h"

namespace kdx {
namespace {

// Files, with | for a line's end and % for a NUL, and "vendor, name, version, code name".
const std::pair<const char*, const char*> kFiles[] = {
    {R"_(PRETTY_NAME="Debian GNU/Linux 12 (bookworm)"|NAME="Debian GNU/Linux"|VERSION_ID="12"|VERSION_CODENAME=bookworm)_",
     "Debian GNU/Linux, Debian GNU/Linux 12 (bookworm), 12.0.0, bookworm"},
    {R"_(PRETTY_NAME="Ubuntu 22.04.4 LTS"|NAME="Ubuntu"|VERSION_ID="22.04"|VERSION_CODENAME=jammy|ID_LIKE=debian|)_",
     "Ubuntu, Ubuntu 22.04.4 LTS, 22.4.0, jammy"},
    {R"_(NAME="openSUSE Tumbleweed"|# VERSION="20240301"|VERSION_ID="20240301"|PRETTY_NAME="openSUSE Tumbleweed"|)_",
     "openSUSE Tumbleweed, openSUSE Tumbleweed, 20240301.0.0, "},
    {R"_(NAME="Alpine Linux"|ID=alpine|VERSION_ID=3.19.1|PRETTY_NAME="Alpine Linux v3.19"|)_",
     "Alpine Linux, Alpine Linux v3.19, 3.19.0, "},
    {R"_(NAME="Amazon Linux"|VERSION_ID="2023"|PRETTY_NAME="Amazon Linux 2023.3.20240304"|VENDOR_NAME="AWS"|)_",
     "AWS, Amazon Linux 2023.3.20240304, 2023.0.0, "},
    {R"_(BUILD_ID="23.11.20240301.d17f7d4"|NAME=NixOS|PRETTY_NAME="NixOS 23.11 (Tapir)"|VERSION_CODENAME=tapir|VERSION_ID="23.11")_",
     "NixOS, NixOS 23.11 (Tapir), 23.11.0, tapir"},
    {R"_(NAME="Void"|ID="void"|PRETTY_NAME="Void Linux"|)_", "Void, Void Linux, 0.0.0, "},
    {"", "nobody, Linux, 0.0.0, "},
    {"|#NAME=a|NAME|=a|NAME =a|XNAME=a|name=a|export NAME=a|NAME=two words|NAME=\"a\"b;c d", "nobody, Linux, 0.0.0, "},
    {"NAME=kept|NAME=\"open|NAME='open|NAME=\"open\\\"|NAME=n%l|NAME=%|NAME=\"open\\", "kept, Linux, 0.0.0, "},
    {"NAME=ends\\", "ends\\, Linux, 0.0.0, "},
    {"NAME=first|NAME=last|VENDOR_NAME=|PRETTY_NAME=''|BUILD_ID=2600", "last, Linux, 0.0.2600, "},
    {"BUILD_ID=4294967296|VERSION_ID=-1.2|NAME= # none", "nobody, Linux, 0.0.0, "},
    {" \tNAME=indented\r|BUILD_ID=2600x|VERSION_ID=4294967295.4294967296", "indented, Linux, 4294967295.0.0, "},
    {R"_(NAME=a\ b"c d"'e f'\\ # comment|PRETTY_NAME="\$\`\"\\\a\'#"|VERSION_CODENAME='\$"'|)_",
     R"_(a bc de f\, $`"\\a\'#, 0.0.0, \$")_"},
};

TEST(OsRelease, EveryFileIsReadAsAShellWould) {
  for (const auto& [file, expected] : kFiles) {
    string text = file;
    std::ranges::replace(text, '|', '\n');
    std::ranges::replace(text, '%', '\0');
    LD_OSInformation_s found;
    found.vendor = "nobody";
    describeLinux(parseOsRelease(text), found);
    EXPECT_EQ(found.vendor + ", " + found.name + ", " + std::to_string(found.majorVersion) + '.' +
                  std::to_string(found.minorVersion) + '.' + std::to_string(found.buildNumber) + ", " +
                  found.servicePack,
              expected);
  }
}

}  // namespace
}  // namespace kdx
