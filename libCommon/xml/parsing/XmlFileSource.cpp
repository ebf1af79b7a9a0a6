#include "libCommon/xml/parsing/XmlFileSource.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "libCommon/io/FileLoader.h"

namespace vrx {

XmlFileSource::XmlFileSource(const std::string& path, std::size_t size) : m_file(path, O_RDONLY), m_left(size) {}

std::unique_ptr<XmlFileSource> XmlFileSource::open(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= 0 ||
        static_cast<std::size_t>(status.st_size) > MAXIMUM_FILE_SIZE) {
        return nullptr;
    }
    std::unique_ptr<XmlFileSource> source(new XmlFileSource(path, static_cast<std::size_t>(status.st_size)));
    return source->m_file.isOpen() ? std::move(source) : nullptr;
}

std::size_t XmlFileSource::read(char* buffer, std::size_t capacity) noexcept {
    std::size_t used = 0;
    while (m_left > 0 && used < capacity) {
        const ssize_t count = m_file.read(buffer + used, std::min(m_left, capacity - used));
        if (count <= 0) {
            m_error = count < 0 ? errno : 0;
            m_left = 0;
            break;
        }
        used += static_cast<std::size_t>(count);
        m_left -= static_cast<std::size_t>(count);
    }
    return used;
}

}  // namespace vrx
