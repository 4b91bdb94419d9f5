#include "tools/emulated_drive/interpose/device_ioctl.h"

#include <linux/cdrom.h>
#include <scsi/scsi.h>
#include <scsi/scsi_ioctl.h>
#include <scsi/sg.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace velmor::emulated_drive {

namespace {

constexpr int kSgVersion = 30536;       // 3.5.36: what SG_IO of block devices answers
constexpr int kReservedBytes = 131072;  // largest transfer offered
constexpr int kMostTransferBytes = 1 << 20;
constexpr unsigned char kCheckCondition = 0x02;
constexpr unsigned short kDriverSense = 0x08;

int fail(int reason) {
  errno = reason;
  return -1;
}

void fillSense(const SenseData& sense, sg_io_hdr_t& header) {
  const auto bytes = senseBytes(sense);
  header.status = kCheckCondition;
  header.masked_status = kCheckCondition >> 1;
  header.driver_status = kDriverSense;
  header.info |= SG_INFO_CHECK;
  if (header.sbp != nullptr) {
    header.sb_len_wr =
        static_cast<unsigned char>(std::min<std::size_t>(header.mx_sb_len, bytes.size()));
    std::memcpy(header.sbp, bytes.data(), header.sb_len_wr);
  }
}

int sgIo(EmulatedDevice& device, sg_io_hdr_t& header) {
  if (header.interface_id != 'S' || header.iovec_count != 0) {
    return fail(EINVAL);
  }
  if (header.cmdp == nullptr || header.cmd_len == 0 || header.cmd_len > 16) {
    return fail(EMSGSIZE);
  }
  if (header.dxfer_len > kMostTransferBytes) {
    return fail(ENOMEM);
  }
  const bool out = header.dxfer_direction == SG_DXFER_TO_DEV;
  const bool in =
      header.dxfer_direction == SG_DXFER_FROM_DEV || header.dxfer_direction == SG_DXFER_TO_FROM_DEV;
  auto* data = static_cast<uint8_t*>(header.dxferp);
  const std::size_t length = data == nullptr ? 0 : header.dxfer_len;
  header.status = header.masked_status = header.msg_status = 0;
  header.host_status = header.driver_status = 0;
  header.sb_len_wr = 0;
  header.info = 0;
  header.resid = 0;
  const Reply reply =
      device.execute({header.cmdp, header.cmd_len}, out ? ByteView(data, length) : ByteView());
  header.duration = static_cast<unsigned>(reply.delay.count());
  if (reply.sense) {
    fillSense(*reply.sense, header);
  }
  if (in) {
    const std::size_t carried = std::min(length, reply.data.size());
    std::copy_n(reply.data.begin(), carried, data);
    header.resid = static_cast<int>(length - carried);
  }
  return 0;
}

/// CDROM_SEND_PACKET: the same commands through the CD-ROM layer.
int sendPacket(EmulatedDevice& device, cdrom_generic_command& command) {
  constexpr std::size_t kPacketBytes = 12;
  const bool out = command.data_direction == CGC_DATA_WRITE;
  const std::size_t length = command.buffer == nullptr ? 0 : command.buflen;
  const Reply reply = device.execute({command.cmd, kPacketBytes},
                                     out ? ByteView(command.buffer, length) : ByteView());
  if (!out && length > 0) {
    std::copy_n(reply.data.begin(), std::min(length, reply.data.size()), command.buffer);
  }
  command.stat = reply.sense ? 1 : 0;
  if (!reply.sense) {
    return 0;
  }
  if (command.sense != nullptr) {
    const auto bytes = senseBytes(*reply.sense);
    std::memcpy(command.sense, bytes.data(), std::min(sizeof *command.sense, bytes.size()));
  }
  return fail(EIO);
}

int driveStatus(EmulatedDevice& device) {
  return device.trayOpen() ? CDS_TRAY_OPEN : device.hasDisc() ? CDS_DISC_OK : CDS_NO_DISC;
}

/// Where the drive hangs: a host of its own, so that no two share an address.
int addressOf(EmulatedDevice& device, sg_scsi_id& id) {
  id = {};
  id.host_no = device.number();
  id.scsi_type = TYPE_ROM;
  return 0;
}

struct LunAddress {
  uint32_t id, host_id;
};

int lunAddressOf(EmulatedDevice& device, LunAddress& address) {
  address = {static_cast<uint32_t>(device.number()) << 24, 0};
  return 0;
}

int storeInt(void* argument, int value) {
  if (argument == nullptr) {
    return fail(EFAULT);
  }
  *static_cast<int*>(argument) = value;
  return 0;
}

/// A request whose argument is a record of the caller's.
template <typename Record>
int answer(EmulatedDevice& device, void* argument, int (*how)(EmulatedDevice&, Record&)) {
  return argument == nullptr ? fail(EFAULT) : how(device, *static_cast<Record*>(argument));
}

int runCommand(EmulatedDevice& device, ByteView cdb) {
  return device.execute(cdb, {}).sense ? fail(EIO) : 0;
}

/// READ TOC in format 0 as times, the whole table; nothing when the disc has none.
ByteBuffer tableOfContents(EmulatedDevice& device) {
  constexpr uint8_t kReadToc[] = {0x43, 2, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0};
  const Reply reply = device.execute(kReadToc, {});
  return reply.sense ? ByteBuffer() : reply.data;
}

int tocHeader(EmulatedDevice& device, cdrom_tochdr& header) {
  const ByteBuffer toc = tableOfContents(device);
  if (toc.empty()) {
    return fail(EIO);
  }
  header.cdth_trk0 = toc[2];
  header.cdth_trk1 = toc[3];
  return 0;
}

int tocEntry(EmulatedDevice& device, cdrom_tocentry& entry) {
  constexpr std::size_t kHeaderBytes = 4;
  constexpr std::size_t kEntryBytes = 8;
  const ByteBuffer toc = tableOfContents(device);
  for (std::size_t at = kHeaderBytes; at < toc.size(); at += kEntryBytes) {
    if (toc[at + 2] != entry.cdte_track) {
      continue;
    }
    entry.cdte_adr = toc[at + 1] >> 4 & 0x0F;
    entry.cdte_ctrl = toc[at + 1] & 0x0F;
    entry.cdte_datamode = 0;
    const MsfAddress msf{toc[at + 5], toc[at + 6], toc[at + 7]};
    if (entry.cdte_format == CDROM_MSF) {
      entry.cdte_addr.msf = {msf.minute, msf.second, msf.frame};
    } else {
      entry.cdte_addr.lba = lbaOf(msf).value_or(0);
    }
    return 0;
  }
  return fail(toc.empty() ? EIO : EINVAL);
}

int catalogNumber(EmulatedDevice& device, cdrom_mcn& number) {
  constexpr uint8_t kReadMcn[] = {0x42, 0, 0x40, 2, 0, 0, 0, 0, 24, 0};
  constexpr std::size_t kDigits = 13;
  const Reply reply = device.execute(kReadMcn, {});
  if (reply.sense) {
    return fail(EIO);
  }
  number = {};
  std::copy_n(&reply.data[9], kDigits, number.medium_catalog_number);
  return 0;
}

}  // namespace

int deviceIoctl(EmulatedDevice& device, unsigned long request, void* argument) {
  switch (request) {
    case SG_IO:
      return answer(device, argument, sgIo);
    case CDROM_SEND_PACKET:
      return answer(device, argument, sendPacket);
    case CDROM_DRIVE_STATUS:
      return driveStatus(device);
    case CDROM_GET_CAPABILITY:
      return CDC_CLOSE_TRAY | CDC_OPEN_TRAY | CDC_LOCK | CDC_MEDIA_CHANGED | CDC_GENERIC_PACKET |
             CDC_DRIVE_STATUS | CDC_CD_R | CDC_CD_RW | CDC_MCN;
    case CDROMREADTOCHDR:
      return answer(device, argument, tocHeader);
    case CDROMREADTOCENTRY:
      return answer(device, argument, tocEntry);
    case CDROM_GET_MCN:
      return answer(device, argument, catalogNumber);
    case SG_GET_SCSI_ID:
      return answer(device, argument, addressOf);
    case SCSI_IOCTL_GET_IDLUN:
      return answer(device, argument, lunAddressOf);
    case SCSI_IOCTL_GET_BUS_NUMBER:
      return storeInt(argument, device.number());
    case SG_GET_VERSION_NUM:
      return storeInt(argument, kSgVersion);
    case SG_EMULATED_HOST:
      return storeInt(argument, 1);
    case SG_GET_RESERVED_SIZE:
      return storeInt(argument, kReservedBytes);
    case SG_SET_RESERVED_SIZE:
    case SG_SET_TIMEOUT:
      return 0;
    case SG_GET_TIMEOUT:
      return 6000;  // jiffies
    case CDROMEJECT: {
      constexpr uint8_t kEject[] = {0x1B, 0, 0, 0, 2, 0};
      return runCommand(device, kEject);
    }
    case CDROMCLOSETRAY: {
      constexpr uint8_t kLoad[] = {0x1B, 0, 0, 0, 3, 0};
      return runCommand(device, kLoad);
    }
    default:
      return fail(ENOTTY);
  }
}

}  // namespace velmor::emulated_drive
