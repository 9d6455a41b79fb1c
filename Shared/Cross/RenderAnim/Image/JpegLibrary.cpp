#include "Shared/Cross/RenderAnim/Image/JpegLibrary.h"

#include <turbojpeg.h>

#include "Shared/PC/Module/SharedModule.h"

namespace {

constexpr char s_JpegLibraryName[] = "libturbojpeg.so.0";
constexpr int s_BestQuality = 100;

} // namespace

struct JpegLibrary::Entries {
    SharedModule module;
    decltype(&tjInitCompress) pInitCompress = nullptr;
    decltype(&tjInitDecompress) pInitDecompress = nullptr;
    decltype(&tjDestroy) pDestroy = nullptr;
    decltype(&tjDecompressHeader3) pReadHeader = nullptr;
    decltype(&tjDecompress2) pRead = nullptr;
    decltype(&tjBufSize) pGetBufferSize = nullptr;
    decltype(&tjCompress2) pWrite = nullptr;
    decltype(&tjGetErrorStr2) pGetError = nullptr;

    // False when one isn't there.
    bool FindAll() {
        return Find(pInitCompress, "tjInitCompress") && Find(pInitDecompress, "tjInitDecompress") &&
               Find(pDestroy, "tjDestroy") && Find(pReadHeader, "tjDecompressHeader3") &&
               Find(pRead, "tjDecompress2") && Find(pGetBufferSize, "tjBufSize") && Find(pWrite, "tjCompress2") &&
               Find(pGetError, "tjGetErrorStr2");
    }

    // One job of the library, from its start to its end.
    class Job {
    public:
        Job(const Entries& entries, tjhandle handle) : m_Entries(entries), m_Handle(handle) {}
        ~Job() {
            if (m_Handle)
                m_Entries.pDestroy(m_Handle);
        }
        Job(const Job&) = delete;
        Job& operator=(const Job&) = delete;

        tjhandle GetHandle() const { return m_Handle; }
        // Takes the reason over when the library's answer is a failure.
        bool Check(int answer, std::string& error) const {
            if (answer == 0 && m_Handle)
                return true;
            error = m_Entries.pGetError(m_Handle);
            return false;
        }

    private:
        const Entries& m_Entries;
        tjhandle m_Handle;
    };

private:
    template <typename Entry>
    bool Find(Entry& pEntry, const char* pName) {
        pEntry = reinterpret_cast<Entry>(module.Find(pName));
        return pEntry != nullptr;
    }
};

const JpegLibrary& JpegLibrary::Get() {
    static const JpegLibrary s_Library(s_JpegLibraryName);
    return s_Library;
}

JpegLibrary::JpegLibrary(const char* pLibraryName) : m_pEntries(std::make_unique<Entries>()) {
    if (!m_pEntries->module.LoadByName(pLibraryName))
        m_Error = m_pEntries->module.GetError();
    else if (!m_pEntries->FindAll())
        m_Error = std::string(pLibraryName) + " lacks an operation";
    if (!m_Error.empty())
        m_pEntries.reset();
}

JpegLibrary::~JpegLibrary() = default;

bool JpegLibrary::ReadSize(std::span<const uint8_t> file, uint32_t& width, uint32_t& height, std::string& error) const {
    if (!IsLoaded())
        return false;
    const Entries::Job job(*m_pEntries, m_pEntries->pInitDecompress());
    int signedWidth = 0;
    int signedHeight = 0;
    int subsampling = 0;
    int colourSpace = 0;
    if (!job.GetHandle() || !job.Check(m_pEntries->pReadHeader(job.GetHandle(), file.data(), file.size(), &signedWidth,
                                                               &signedHeight, &subsampling, &colourSpace),
                                       error))
        return false;
    width = static_cast<uint32_t>(signedWidth);
    height = static_cast<uint32_t>(signedHeight);
    return true;
}

bool JpegLibrary::Read(std::span<const uint8_t> file, uint32_t width, uint32_t height, std::span<Colour> pixels,
                       std::string& error) const {
    if (!IsLoaded() || pixels.size() < size_t{width} * height)
        return false;
    const Entries::Job job(*m_pEntries, m_pEntries->pInitDecompress());
    return job.GetHandle() &&
           job.Check(m_pEntries->pRead(job.GetHandle(), file.data(), file.size(),
                                       reinterpret_cast<unsigned char*>(pixels.data()), static_cast<int>(width), 0,
                                       static_cast<int>(height), TJPF_BGRA, TJFLAG_BOTTOMUP | TJFLAG_STOPONWARNING),
                     error);
}

bool JpegLibrary::Write(std::span<const Colour_RGB888> pixels, uint32_t width, uint32_t height,
                        std::vector<uint8_t>& file, std::string& error) const {
    if (!IsLoaded() || pixels.size() < size_t{width} * height)
        return false;
    const Entries::Job job(*m_pEntries, m_pEntries->pInitCompress());
    unsigned long size = m_pEntries->pGetBufferSize(static_cast<int>(width), static_cast<int>(height), TJSAMP_444);
    file.resize(size);
    unsigned char* pFile = file.data();
    if (!job.GetHandle() ||
        !job.Check(m_pEntries->pWrite(job.GetHandle(), reinterpret_cast<const unsigned char*>(pixels.data()),
                                      static_cast<int>(width), 0, static_cast<int>(height), TJPF_BGR, &pFile, &size,
                                      TJSAMP_444, s_BestQuality, TJFLAG_BOTTOMUP | TJFLAG_NOREALLOC),
                   error))
        return false;
    file.resize(size);
    return true;
}
