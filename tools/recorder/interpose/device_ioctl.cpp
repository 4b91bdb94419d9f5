#include "tools/recorder/interpose/device_ioctl.h"

#include <linux/cdrom.h>
#include <scsi/scsi.h>
#include <scsi/scsi_ioctl.h>
#include <scsi/sg.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace velmor::recorder {

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

void fillSense(const Sense& sense, sg_io_hdr_t& header) {
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

int sgIo(Device& device, sg_io_hdr_t& header) {
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
int sendPacket(Device& device, cdrom_generic_command& command) {
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

int driveStatus(Device& device) {
  return device.trayOpen() ? CDS_TRAY_OPEN : device.hasDisc() ? CDS_DISC_OK : CDS_NO_DISC;
}

/// Where the drive hangs: a host of its own, so that no two share an address.
int addressOf(Device& device, sg_scsi_id& id) {
  id = {};
  id.host_no = device.number();
  id.scsi_type = TYPE_ROM;
  return 0;
}

int storeInt(void* argument, int value) {
  *static_cast<int*>(argument) = value;
  return 0;
}

int runCommand(Device& device, ByteView cdb) {
  return device.execute(cdb, {}).sense ? fail(EIO) : 0;
}

}  // namespace

int deviceIoctl(Device& device, unsigned long request, void* argument) {
  switch (request) {
    case SG_IO:
      return argument == nullptr ? fail(EFAULT)
                                 : sgIo(device, *static_cast<sg_io_hdr_t*>(argument));
    case CDROM_SEND_PACKET:
      return argument == nullptr
                 ? fail(EFAULT)
                 : sendPacket(device, *static_cast<cdrom_generic_command*>(argument));
    case CDROM_DRIVE_STATUS:
      return driveStatus(device);
    case CDROM_GET_CAPABILITY:
      return CDC_CLOSE_TRAY | CDC_OPEN_TRAY | CDC_LOCK | CDC_MEDIA_CHANGED | CDC_GENERIC_PACKET |
             CDC_DRIVE_STATUS | CDC_CD_R | CDC_CD_RW | CDC_MCN;
    case SG_GET_SCSI_ID:
      return addressOf(device, *static_cast<sg_scsi_id*>(argument));
    case SCSI_IOCTL_GET_IDLUN: {
      auto* id = static_cast<uint32_t*>(argument);
      id[0] = static_cast<uint32_t>(device.number()) << 24;
      id[1] = 0;
      return 0;
    }
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

}  // namespace velmor::recorder
