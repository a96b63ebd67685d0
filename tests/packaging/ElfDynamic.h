// What a shared object's dynamic section tells the loader: the libraries it
// needs, its own soname and its search paths, for 32-bit and 64-bit ELF alike.
#pragma once

#include <elf.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace packaging {

struct ElfDynamic {
    unsigned char elfClass = ELFCLASSNONE;  // ELFCLASS32 or ELFCLASS64
    unsigned machine = EM_NONE;
    std::vector<std::string> needed;  // in the order of the section
    std::string soname;
    std::string runpath;  // DT_RUNPATH, or DT_RPATH when that is all there is
};

namespace detail {

template <typename Ehdr, typename Shdr, typename Dyn>
bool readDynamic(const std::vector<char>& file, ElfDynamic& out)
{
    auto fits = [&](size_t offset, size_t size) { return offset <= file.size() && size <= file.size() - offset; };
    Ehdr header;
    if (!fits(0, sizeof header))
        return false;
    std::memcpy(&header, file.data(), sizeof header);
    out.machine = header.e_machine;
    if (header.e_shentsize != sizeof(Shdr) || !fits(header.e_shoff, size_t(header.e_shnum) * sizeof(Shdr)))
        return false;
    std::vector<Shdr> sections(header.e_shnum);
    std::memcpy(sections.data(), file.data() + header.e_shoff, sections.size() * sizeof(Shdr));
    for (const Shdr& section : sections) {
        if (section.sh_type != SHT_DYNAMIC || section.sh_link >= sections.size())
            continue;
        const Shdr& strings = sections[section.sh_link];
        if (!fits(section.sh_offset, section.sh_size) || !fits(strings.sh_offset, strings.sh_size))
            return false;
        auto text = [&](size_t offset) {
            if (offset >= strings.sh_size)
                return std::string();
            const char* start = file.data() + strings.sh_offset + offset;
            return std::string(start, strnlen(start, strings.sh_size - offset));
        };
        std::string rpath;
        for (size_t i = 0; i < section.sh_size / sizeof(Dyn); ++i) {
            Dyn entry;
            std::memcpy(&entry, file.data() + section.sh_offset + i * sizeof(Dyn), sizeof entry);
            if (entry.d_tag == DT_NULL)
                break;
            if (entry.d_tag == DT_NEEDED)
                out.needed.push_back(text(entry.d_un.d_val));
            else if (entry.d_tag == DT_SONAME)
                out.soname = text(entry.d_un.d_val);
            else if (entry.d_tag == DT_RUNPATH)
                out.runpath = text(entry.d_un.d_val);
            else if (entry.d_tag == DT_RPATH)
                rpath = text(entry.d_un.d_val);
        }
        if (out.runpath.empty())
            out.runpath = rpath;
        return true;
    }
    return false;
}

}  // namespace detail

// False when `path` is not an ELF file with a dynamic section.
inline bool readElfDynamic(const std::string& path, ElfDynamic& out)
{
    std::ifstream in(path, std::ios::binary);
    const std::vector<char> file{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (file.size() < EI_NIDENT || std::memcmp(file.data(), ELFMAG, SELFMAG) != 0)
        return false;
    out = ElfDynamic{};
    out.elfClass = static_cast<unsigned char>(file[EI_CLASS]);
    if (out.elfClass == ELFCLASS32)
        return detail::readDynamic<Elf32_Ehdr, Elf32_Shdr, Elf32_Dyn>(file, out);
    if (out.elfClass == ELFCLASS64)
        return detail::readDynamic<Elf64_Ehdr, Elf64_Shdr, Elf64_Dyn>(file, out);
    return false;
}

}  // namespace packaging
