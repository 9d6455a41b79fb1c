#pragma once

#include <png.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

// A PNG to be written: its rows from the top down, as the format packs them.
struct PngFile {
    uint32_t width = 2;
    uint32_t height = 2;
    int bitDepth = 8;
    int colourType = PNG_COLOR_TYPE_RGB;
    std::vector<std::vector<uint8_t>> rows = {};
    std::vector<png_color> palette = {};
    std::vector<uint8_t> paletteAlpha = {};
    bool hasTransparentColour = false;
    png_color_16 transparent = {};
    bool isInterlaced = false;
    double gamma = 0.0; // 0: the file says nothing of it

    std::string Write() const {
        std::string bytes;
        png_structp pPng = png_create_write_struct(
            PNG_LIBPNG_VER_STRING, nullptr, [](png_structp, png_const_charp pText) { throw std::runtime_error(pText); },
            nullptr);
        png_infop pInfo = png_create_info_struct(pPng);
        png_set_write_fn(
            pPng, &bytes,
            [](png_structp pWriter, png_bytep pSource, size_t size) {
                static_cast<std::string*>(png_get_io_ptr(pWriter))->append(reinterpret_cast<char*>(pSource), size);
            },
            nullptr);
        png_set_IHDR(pPng, pInfo, width, height, bitDepth, colourType,
                     isInterlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                     PNG_FILTER_TYPE_DEFAULT);
        if (!palette.empty())
            png_set_PLTE(pPng, pInfo, palette.data(), static_cast<int>(palette.size()));
        if (!paletteAlpha.empty())
            png_set_tRNS(pPng, pInfo, paletteAlpha.data(), static_cast<int>(paletteAlpha.size()), nullptr);
        if (hasTransparentColour)
            png_set_tRNS(pPng, pInfo, nullptr, 0, &transparent);
        if (gamma > 0.0)
            png_set_gAMA(pPng, pInfo, gamma);
        png_write_info(pPng, pInfo);
        std::vector<std::vector<uint8_t>> copy = rows;
        std::vector<png_bytep> pointers;
        for (std::vector<uint8_t>& row : copy)
            pointers.push_back(row.data());
        png_write_image(pPng, pointers.data());
        png_write_end(pPng, pInfo);
        png_destroy_write_struct(&pPng, &pInfo);
        return bytes;
    }
};
