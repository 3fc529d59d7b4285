"""The platforms for which the library is built."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Platform:
    name: str
    file_suffix: str # of the packages' names
    product: str # name in the list of installed programs
    upgrade_code: str
    program_files: str # Windows Installer's name of the folder
    template: str # Windows Installer's name of the platform
    win64: str # whether a component belongs to the 64-bit registry view and folders
    condition: str # of the installation
    type_library_key: str
    architecture: str # in manifests


PLATFORMS = {
    "x86": Platform("x86", "", "JobObjects", "1208A6C2-E50F-48F7-86AC-862303E46D82", "ProgramFilesFolder", "Intel", "no",
                    "VersionNT &gt;= 601", "win32", "x86"),
    "x64": Platform("x64", "-x64", "JobObjects (64-bit)", "5D0B4C1E-6C0B-4D0E-9F4B-4B7B8C1D2A36", "ProgramFiles64Folder",
                    "x64", "yes", "VersionNT64 &gt;= 601", "win64", "amd64"),
}
