#pragma once

class Expressions;
class PXML;

// The product's texts. Getters fill `buffer` of `size` bytes, cut and terminated.
class ProductDescription {
public:
    ProductDescription(const PXML& description, Expressions& expressions)
        : description_(description), expressions_(expressions) {}

    // 0, or -1 when the description has no ProductDesc element.
    int readProductDescription() const;

    // 0; -1 with `buffer` emptied when the element or its text is missing, or `buffer` is null.
    int getFullName(char* buffer, int size) const;
    int getMajorVersion(char* buffer, int size) const;
    int getWebsite(char* buffer, int size) const;
    int getSupportEmail(char* buffer, int size) const;
    int getInstallHelpUrl(char* buffer, int size) const;
    // Three numbers joined by ".". -1 when one is missing; `buffer` holds what was joined so far.
    int getVersion(char* buffer, int size) const;
    // The description's title, or full name and version. 0; -1 with "Unknown title" when there is no full
    // name.
    int getTitle(char* buffer, int size) const;

    // Paths, with their variables expanded. 0; -1 when the element or its text is missing; 1 when the
    // expansion gave nothing. `buffer` is empty unless the result is 0.
    int getInstallLogFile(char* buffer, int size) const;
    int getInstallBackupFile(char* buffer, int size) const;
    int getUninstallCmd(char* buffer, int size) const;
    int getUninstallXmlFile(char* buffer, int size) const;

private:
    int getPlain(const char* path, char* buffer, int size) const;
    int getExpanded(const char* path, char* buffer, int size) const;

    const PXML& description_;
    Expressions& expressions_;
};
