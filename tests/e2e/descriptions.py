"""Small descriptions for the end-to-end tests."""

from harness import EXE

SKELETON = """<TandrelGroupInstallation>
<ProductDesc>
 <Fullname>Test Product</Fullname>
 <MajorVersion>1</MajorVersion><MinorVersion>2</MinorVersion><MinestVersion>3</MinestVersion>
 <Website>https://test.example</Website>
</ProductDesc>
<InstallerControlVariables>
 <InstallError>INSTALL_ERROR</InstallError><UninstallError>UNINSTALL_ERROR</UninstallError>
</InstallerControlVariables>
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
<UninstallDialogs>
 {farewell}
 <Finish Special="Finish"><Text x="1" y="1">Bye.</Text></Finish>
</UninstallDialogs>
<Installation>
 <Uninstall>
  <InstallLogFile>[DIR]/un/install.log</InstallLogFile>
  <InstallBackupFile>[DIR]/un/backup.bin</InstallBackupFile>
  <UninstallXmlFile>[DIR]/un/install.xml</UninstallXmlFile>
  <UninstallCmd>[DIR]/un/{image}</UninstallCmd>
 </Uninstall>
 <FileSet Name="Uninstaller"><FN Dest="[DIR]/un" Alias="UninstallXml">install.xml</FN></FileSet>
 {sets}
</Installation>
</TandrelGroupInstallation>
"""


def description(directory, sets, pages="<Welcome/>", values="", late="", more="", farewell=""):
    """`late` are pages after the copying, `farewell` those of an uninstallation, `more` sections of the document."""
    return SKELETON.format(directory=directory, sets=sets, pages=pages, values=values, late=late, more=more,
                           farewell=farewell, image="installer" + EXE)
