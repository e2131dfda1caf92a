# Installation; filled in together with the package files.
