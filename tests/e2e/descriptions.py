"""Small descriptions for the end-to-end tests."""

SKELETON = """<TandrelGroupInstallation>
<ProductDesc>
 <Fullname>Test Product</Fullname>
 <MajorVersion>1</MajorVersion><MinorVersion>2</MinorVersion><MinestVersion>3</MinestVersion>
</ProductDesc>
<InstallerControlVariables><InstallError>INSTALL_ERROR</InstallError></InstallerControlVariables>
{more}
<DefValues>
 <Value Name="INSTALL_ERROR" DataType="value">0</Value>
 <Value Name="DIR" DataType="value">{directory}</Value>
 {values}
</DefValues>
<Dialogs>
 {pages}
 <CopyProgress Special="AutoNext"/>
 {late}
 <BadFinish Special="BadFinish;Finish" Condition="[INSTALL_ERROR]==1"><Text x="1" y="1">It failed.</Text></BadFinish>
 <Finish Special="Finish"><Text x="1" y="1">It worked.</Text></Finish>
</Dialogs>
<UninstallDialogs><Finish Special="Finish"><Text x="1" y="1">Bye.</Text></Finish></UninstallDialogs>
<Installation>
 <Uninstall>
  <InstallLogFile>[DIR]/un/install.log</InstallLogFile>
  <InstallBackupFile>[DIR]/un/backup.bin</InstallBackupFile>
  <UninstallXmlFile>[DIR]/un/install.xml</UninstallXmlFile>
 </Uninstall>
 <FileSet Name="Uninstaller"><FN Dest="[DIR]/un" Alias="UninstallXml">install.xml</FN></FileSet>
 {sets}
</Installation>
</TandrelGroupInstallation>
"""


def description(directory, sets, pages="<Welcome/>", values="", late="", more=""):
    """`late` are pages behind the copying, `more` are sections of the document."""
    return SKELETON.format(directory=directory, sets=sets, pages=pages, values=values, late=late, more=more)
