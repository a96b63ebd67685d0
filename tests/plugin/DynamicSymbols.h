// The names a shared object exports, read from its dynamic symbol table, for
// 32-bit and 64-bit ELF alike.
#pragma once

#include <elf.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

namespace linktest
{

struct ExportedSymbol {
    std::string name;
    unsigned char binding = 0;  // STB_GLOBAL, STB_WEAK, STB_GNU_UNIQUE
    bool operator<(const ExportedSymbol& other) const { return name < other.name; }
};

template <typename Ehdr, typename Shdr, typename Sym>
bool readDefinedSymbols(const std::vector<char>& file, std::set<ExportedSymbol>& out)
{
    auto fits = [&](size_t offset, size_t size) { return offset <= file.size() && size <= file.size() - offset; };
    if (!fits(0, sizeof(Ehdr)))
        return false;
    Ehdr header;
    std::memcpy(&header, file.data(), sizeof header);
    if (header.e_shentsize != sizeof(Shdr) || !fits(header.e_shoff, size_t(header.e_shnum) * sizeof(Shdr)))
        return false;
    std::vector<Shdr> sections(header.e_shnum);
    std::memcpy(sections.data(), file.data() + header.e_shoff, sections.size() * sizeof(Shdr));
    for (const Shdr& section : sections) {
        if (section.sh_type != SHT_DYNSYM || section.sh_link >= sections.size())
            continue;
        const Shdr& strings = sections[section.sh_link];
        if (!fits(section.sh_offset, section.sh_size) || !fits(strings.sh_offset, strings.sh_size))
            return false;
        for (size_t i = 1; i < section.sh_size / sizeof(Sym); ++i) {
            Sym symbol;
            std::memcpy(&symbol, file.data() + section.sh_offset + i * sizeof(Sym), sizeof symbol);
            const unsigned char binding = symbol.st_info >> 4;
            if (symbol.st_shndx == SHN_UNDEF || binding == STB_LOCAL || symbol.st_name >= strings.sh_size)
                continue;
            const char* name = file.data() + strings.sh_offset + symbol.st_name;
            out.insert({std::string(name, strnlen(name, strings.sh_size - symbol.st_name)), binding});
        }
        return true;
    }
    return false;
}

// Every symbol the object defines and shows to others; false when the file is
// not an ELF shared object with a dynamic symbol table.
inline bool definedDynamicSymbols(const std::string& path, std::set<ExportedSymbol>& out)
{
    std::ifstream in(path, std::ios::binary);
    const std::vector<char> file{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (file.size() < EI_NIDENT || std::memcmp(file.data(), ELFMAG, SELFMAG) != 0)
        return false;
    if (file[EI_CLASS] == ELFCLASS32)
        return readDefinedSymbols<Elf32_Ehdr, Elf32_Shdr, Elf32_Sym>(file, out);
    if (file[EI_CLASS] == ELFCLASS64)
        return readDefinedSymbols<Elf64_Ehdr, Elf64_Shdr, Elf64_Sym>(file, out);
    return false;
}

}  // namespace linktest
