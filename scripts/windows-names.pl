# Gives the files below ARGV[0] the names Windows gives them (as the
# platform layer's SystemFileName: each of <>:"|?* becomes "_", so does a
# last dot or space, and a device name gets "_" before it), and makes the
# media paths that name them in JSON, scripts and CSV the same.
use strict;
use warnings;
use File::Find;

sub WindowsName {
  my ($name) = @_;
  $name =~ s/\\"|\\u003[cCeE]|[<>:"|?*]/_/g;
  $name =~ s/[. ]$/_/;
  my ($device) = $name =~ /^([^.]*)/;
  $name = "_$name" if $device =~ /^(CON|PRN|AUX|NUL|COM[1-9]|LPT[1-9])$/i;
  return $name;
}

sub MediaPath {
  my ($path) = @_;
  return $path unless $path =~ m{^(media|previews)/};
  my ($folder, $name) = $path =~ m{^(.*/)([^/]*)$};
  return $folder . WindowsName($name);
}

sub CsvField {
  my ($field) = @_;
  my $text = $field =~ /^"(.*)"$/s ? $1 =~ s/""/"/gr : $field;
  my $mapped = MediaPath($text);
  return $field if $mapped eq $text;
  return $mapped =~ /[,"\r\n]/ ? '"' . ($mapped =~ s/"/""/gr) . '"' : $mapped;
}

my @paths;
find({no_chdir => 1, wanted => sub { push @paths, $File::Find::name }}, $ARGV[0]);
for my $path (reverse sort @paths) {
  if (-f $path && $path =~ /\.(json|js|csv)$/) {
    local $/;
    open(my $in, '<', $path) or die "$path: $!";
    my $text = <$in>;
    close $in;
    if ($path =~ /\.csv$/) {
      $text =~ s/(^|,)("(?:[^"]|"")*"|[^,\n]*)/$1 . CsvField($2)/gme;
    } else {
      $text =~ s/("(?:exported_path|preview_path)":\s*")((?:[^"\\]|\\.)*)"/$1 . MediaPath($2) . '"'/ge;
    }
    open(my $out, '>', $path) or die "$path: $!";
    print $out $text;
    close $out;
  }
  my ($folder, $name) = $path =~ m{^(.*/)([^/]*)$};
  my $mapped = WindowsName($name);
  rename($path, $folder . $mapped) or die "$path: $!" if $mapped ne $name;
}
