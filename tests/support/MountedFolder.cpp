#include "support/MountedFolder.h"
#include <QFile>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>

namespace td::test {

MountedFolder::MountedFolder(const QString& folder, Kind kind, qint64 sizeBytes) : folder_(folder)
{
    const QByteArray target = QFile::encodeName(folder);
    if (kind == Kind::SmallDisk) {
        const QByteArray options = "size=" + QByteArray::number(sizeBytes) + ",mode=0777";
        mounted_ = ::mount("tmpfs", target.constData(), "tmpfs", 0, options.constData()) == 0;
    } else {
        mounted_ = ::mount(target.constData(), target.constData(), nullptr, MS_BIND, nullptr) == 0;
        // A bind mount takes the read-only flag only when mounted again.
        const unsigned long readOnly = MS_REMOUNT | MS_BIND | MS_RDONLY;
        if (mounted_ && ::mount(nullptr, target.constData(), nullptr, readOnly, nullptr) != 0) {
            why_ = QString::fromLocal8Bit(std::strerror(errno));
            unmount();
            return;
        }
    }
    if (!mounted_)
        why_ = QString::fromLocal8Bit(std::strerror(errno));
}

MountedFolder::~MountedFolder()
{
    unmount();
}

void MountedFolder::unmount()
{
    if (mounted_)
        ::umount2(QFile::encodeName(folder_).constData(), MNT_DETACH);
    mounted_ = false;
}

QString FillDisk(const QString& folder)
{
    const QString path = folder + QStringLiteral("/filler");
    const int fd =
        ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0)
        return path;
    const QByteArray block(4096, 'f');
    while (::write(fd, block.constData(), size_t(block.size())) > 0) {
    }
    // The last partial block, byte by byte, so not even a page is left.
    while (::write(fd, block.constData(), 1) > 0) {
    }
    ::close(fd);
    return path;
}

}  // namespace td::test
